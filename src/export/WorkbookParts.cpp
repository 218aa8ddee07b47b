#include "export/WorkbookParts.h"

#include "export/WorkbookText.h"

namespace ombrelian {
namespace {

constexpr char kXmlHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

// Beginnings of the names that the format gives to kinds of parts.
constexpr char kMain[] = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr char kRelationships[] =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr char kPackage[] = "http://schemas.openxmlformats.org/package/2006";
constexpr char kOfficeType[] = "application/vnd.openxmlformats-officedocument.";
constexpr char kPackageType[] = "application/vnd.openxmlformats-package.";

/// The beginning of a part whose outermost element is `element`.
std::string head(const char* element, const std::string& space) {
  return std::string(kXmlHead) + "<" + element + " xmlns=\"" + space + "\"";
}

std::string relation(const std::string& id, const std::string& type, const std::string& target) {
  return "<Relationship Id=\"" + id + "\" Type=\"" + type + "\" Target=\"" + target + "\"/>";
}

std::string relations(const std::string& content) {
  return head("Relationships", std::string(kPackage) + "/relationships") + ">" + content +
         "</Relationships>";
}

std::string type(const std::string& part, const std::string& type) {
  return "<Override PartName=\"/" + part + "\" ContentType=\"" + type + "+xml\"/>";
}

}  // namespace

WorkbookPart packageRelations() {
  const std::string office = kRelationships;
  return {
      "_rels/.rels",
      relations(relation("rId1", office + "/officeDocument", "xl/workbook.xml") +
                relation("rId2", std::string(kPackage) + "/relationships/metadata/core-properties",
                         "docProps/core.xml") +
                relation("rId3", office + "/extended-properties", "docProps/app.xml"))};
}

WorkbookPart programProperties() {
  return {"docProps/app.xml",
          head("Properties",
               "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties") +
              "><Application>Ombrelian</Application></Properties>"};
}

/// Style 0 is for texts and numbers. Style 1 is for dates, with the built-in format 22, which
/// follows the locale of the reader.
WorkbookPart styles() {
  const std::string cell = "<xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"";
  return {"xl/styles.xml",
          head("styleSheet", kMain) +
              "><fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/>"
              "<family val=\"2\"/></font></fonts><fills count=\"2\"><fill>"
              "<patternFill patternType=\"none\"/></fill><fill><patternFill "
              "patternType=\"gray125\"/></fill></fills><borders count=\"1\"><border><left/>"
              "<right/><top/><bottom/><diagonal/></border></borders><cellStyleXfs count=\"1\">" +
              cell + "/></cellStyleXfs><cellXfs count=\"2\">" + cell +
              " xfId=\"0\"/><xf numFmtId=\"22\" fontId=\"0\" fillId=\"0\" borderId=\"0\" "
              "xfId=\"0\" applyNumberFormat=\"1\"/></cellXfs><cellStyles count=\"1\">"
              "<cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles></styleSheet>"};
}

std::string sheetPart(std::size_t number) {
  return "xl/worksheets/sheet" + std::to_string(number) + ".xml";
}

std::string sheetHead(std::size_t number) {
  const std::string selected = number == 1 ? "tabSelected=\"1\" " : "";
  return head("worksheet", kMain) + "><sheetViews><sheetView " + selected +
         "workbookViewId=\"0\"><pane ySplit=\"1\" topLeftCell=\"A2\" activePane=\"bottomLeft\" "
         "state=\"frozen\"/><selection pane=\"bottomLeft\"/></sheetView></sheetViews>"
         "<sheetFormatPr defaultRowHeight=\"15\"/><sheetData>";
}

WorkbookPart workbookPart(TextView title, std::size_t sheets) {
  std::string content = head("workbook", kMain) + " xmlns:r=\"" + kRelationships +
                        "\"><bookViews><workbookView/></bookViews><sheets>";
  for (std::size_t number = 1; number <= sheets; ++number) {
    content += "<sheet name=\"";
    appendWorkbookText(sheetName(title, number), content);
    const std::string id = std::to_string(number);
    content.append("\" sheetId=\"").append(id).append("\" r:id=\"rId").append(id).append("\"/>");
  }
  return {"xl/workbook.xml", content + "</sheets></workbook>"};
}

WorkbookPart workbookRelations(std::size_t sheets) {
  std::string content;
  for (std::size_t number = 1; number <= sheets; ++number) {
    content += relation("rId" + std::to_string(number), std::string(kRelationships) + "/worksheet",
                        "worksheets/sheet" + std::to_string(number) + ".xml");
  }
  content += relation("rId" + std::to_string(sheets + 1), std::string(kRelationships) + "/styles",
                      "styles.xml");
  return {"xl/_rels/workbook.xml.rels", relations(content)};
}

WorkbookPart contentTypes(std::size_t sheets) {
  const std::string office = kOfficeType;
  std::string content =
      head("Types", std::string(kPackage) + "/content-types") +
      "><Default Extension=\"rels\" ContentType=\"" + kPackageType +
      "relationships+xml\"/><Default Extension=\"xml\" ContentType=\"application/xml\"/>" +
      type("docProps/app.xml", office + "extended-properties") +
      type("docProps/core.xml", std::string(kPackageType) + "core-properties") +
      type("xl/styles.xml", office + "spreadsheetml.styles") +
      type("xl/workbook.xml", office + "spreadsheetml.sheet.main");
  for (std::size_t number = 1; number <= sheets; ++number)
    content += type(sheetPart(number), office + "spreadsheetml.worksheet");
  return {"[Content_Types].xml", content + "</Types>"};
}

WorkbookPart coreProperties(Date created, TextView description) {
  std::string content = std::string(kXmlHead) + "<cp:coreProperties xmlns:cp=\"" + kPackage +
                        "/metadata/core-properties\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
                        "xmlns:dcterms=\"http://purl.org/dc/terms/\" "
                        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">";
  if (!description.empty()) {
    content += "<dc:description>";
    appendWorkbookText(description, content);
    content += "</dc:description>";
  }
  for (const std::string name : {"created", "modified"}) {
    if (created == 0) break;
    content += "<dcterms:" + name + " xsi:type=\"dcterms:W3CDTF\">";
    appendWorkbookTime(created, content);
    content += "</dcterms:" + name + ">";
  }
  return {"docProps/core.xml", content + "</cp:coreProperties>"};
}

}  // namespace ombrelian

#pragma once

#include "export/FolderSave.h"
#include "tests/testing/ScanFixture.h"

namespace ombrelian::testing {

inline constexpr ReportFormat kFormats[] = {ReportFormat::TXT, ReportFormat::CSV,
                                            ReportFormat::HTML, ReportFormat::XML,
                                            ReportFormat::XLSX};

/// Names such as "report.csv".
inline std::string nameOf(ReportFormat format, const std::string& name = "report") {
  return name + "." + toBytes(fileExtension(format));
}

/// Saves a tree with known values.
class SaveFixture : public ::testing::Test {
 protected:
  NodeIndex add(NodeIndex parent, TextView name, std::int64_t size = 0, bool isFolder = true) {
    const NodeIndex node =
        parent == kNoNode ? tree.addRoot(name) : tree.addChild(parent, name, isFolder);
    tree[node].size = size;
    tree[node].files = std::int32_t(size / 1000);
    return node;
  }

  Failure save(const std::string& name, std::int32_t levels = kAllLevels) {
    report.applySettings();
    return FolderSave(report, options, ui).SAVE(out.text(name), levels, kKeepDelimiter, {});
  }

  const TestFolder out;
  Options options;
  FolderTree tree;
  FolderReport report{tree, options};
  QuietInterface ui;
};

}  // namespace ombrelian::testing

#include "export/HtmlWriter.h"

namespace ombrelian {

// Old engines know gradients and shadows only by their own names. The plain background in front is
// for engines that do not know them at all.
#define GRADIENT(from, to) \
  u"background: -webkit-gradient(linear, left top, left bottom, from(" from u"), to(" to u"));" \
  u"background: -moz-linear-gradient(top, " from u", " to u");"                                  \
  u"background: linear-gradient(to bottom, " from u", " to u");"
#define RADIUS(corner, mozCorner) \
  u"-moz-border-radius-" mozCorner u":3px;"            \
  u"-webkit-border-" corner u"-radius:3px;"            \
  u"border-" corner u"-radius:3px;"

TextView GetTableHtmlStyles() {
  static constexpr TextView kStyles =
      u"<style type='text/css'>"
      u".r {text-align:right}"
      u"body, html, div, span, h1, h2, h3, h4, h5, h6, p, blockquote, pre, a, abbr, address, cite, "
      u"code, del, dfn, em, img, ins, kbd, q, samp, small, strong, sub, sup, var, b, u, i, dl, dt, "
      u"dd, ol, ul, li, fieldset, form, label, legend, table, caption, tbody, tfoot, thead, tr, th, "
      u"td {margin: 0;padding: 0;border: 0;outline: 0;font-size: 100%;vertical-align:baseline;"
      u"background: transparent;}"
      u"body { line-height: 1; }"
      u"ol, ul { list-style: none; }"
      u"blockquote, q { quotes: none; }"
      u"blockquote:before, blockquote:after, q:before, q:after { content: '';content: none; }"
      u"table {border-spacing: 0; }"
      u"div.style3 table {font-family:Arial, Helvetica, sans-serif;color:#666;font-size:11px;"
      u"text-shadow: 1px 1px 0px #fff;background:#eaebec;margin:20px;border:#ccc 1px solid;"
      u"-moz-border-radius:3px;-webkit-border-radius:3px;border-radius:3px;"
      u"-moz-box-shadow: 0 1px 2px #d1d1d1;-webkit-box-shadow: 0 1px 2px #d1d1d1;"
      u"box-shadow: 0 1px 2px #d1d1d1;}"
      u"div.style3 table th.header1 {line-height:150%;font-size:14px;text-align:left;"
      u"padding:8px 8px 8px 8px;border-top:1px solid #fafafa;border-bottom:1px solid #e0e0e0;"
      u"background: #ededed;" GRADIENT(u"#ededed", u"#ebebeb") u"}"
      u"div.style3 table th {line-height:150%;font-size:11px;text-align:left;"
      u"padding:8px 8px 8px 8px;border-top:1px solid #fafafa;border-bottom:1px solid #e0e0e0;"
      u"background: #e9e9e9;" GRADIENT(u"#e9e9e9", u"#e7e7e7") u"}"
      u"div.style3 table th:first-child {text-align:left;padding-left:8px;}"
      u"div.style3 table tr:first-child th:first-child {" RADIUS(u"top-left", u"topleft") u"}"
      u"div.style3 table tr:first-child th:last-child {" RADIUS(u"top-right", u"topright") u"}"
      u"div.style3 table tr {text-align:left;padding-left:8px;}"
      u"div.style3 table tr td:first-child {text-align:left;padding-left:8px;border-left: 0;}"
      u"div.style3 table tr td {padding:7px 8px 6px 8px;border-top: 1px solid #ffffff;"
      u"border-bottom:1px solid #e0e0e0;border-left: 1px solid #e0e0e0;background: white;}"
      u"div.style3 table tr:last-child td {border-bottom:0;}"
      u"div.style3 table tr:last-child td:first-child {"
      RADIUS(u"bottom-left", u"bottomleft") u"}"
      u"div.style3 table tr:last-child td:last-child {"
      RADIUS(u"bottom-right", u"bottomright") u"}"
      u"div.style3 table tbody tr:nth-child(2n) td {background: #f8f8f8;"
      GRADIENT(u"#f9f9f9", u"#f8f8f8") u"}"
      u"div.style3 table tbody tr:hover td {background: #f1f1f1;"
      GRADIENT(u"#f1f1f1", u"#f0f0f0") u"}"
      u"</style>";
  return kStyles;
}

}  // namespace ombrelian

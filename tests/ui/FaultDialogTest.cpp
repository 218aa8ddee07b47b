#include "ui/FaultDialog.h"

#include <QPlainTextEdit>
#include <QPushButton>

#include "tests/ui/WindowFixture.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using namespace ombrelian::testing;

TEST(FaultDialogTest, TheReportCanBeReadAndSavedAndTheMailIsEncodedTwice) {
  const TestFolder folder;
  qputenv("TMPDIR", folder.path().c_str());
  const Text report = u"Now: x\r\nPath: /a\u00E4\xDCFF\r\n";
  FaultDialog dialog(faultIntroduction(), report);
  dialog.show();
  EXPECT_EQ(dialog.findChild<QPlainTextEdit*>()->toPlainText().count(u'\n'), 2);
  for (const char16_t* const off : {u"cmdDrucken", u"cmdEmail"}) {
    const auto* const button = dialog.findChild<QPushButton*>(QString::fromUtf16(off));
    EXPECT_FALSE(button->isEnabled());
    EXPECT_FALSE(button->toolTip().isEmpty()) << "the tip says why";
  }
  Answer saved(QMessageBox::Ok);
  dialog.findChild<QPushButton*>(u"cmdSpeichern"_s)->click();
  const QString path = saved.text.section(u": "_s, 1);
  EXPECT_TRUE(path.startsWith(toQString(folder.text("ERR")))) << path.toStdString();
  EXPECT_EQ(readFile(path.toStdString()), toBytes(report));
  dialog.findChild<QPushButton*>(u"cmdWeiter"_s)->click();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  qunsetenv("TMPDIR");

  const std::string mail = mailAddress(u"reports@example.org");
  EXPECT_TRUE(mail.starts_with("mailto:reports@example.org?subject=Bugreport_Ombrelian_")) << mail;
  EXPECT_TRUE(mail.ends_with("Bitte%20hier%20die%20Fehlerinformationen%20einf%FCgen:%0A")) << mail;
}

TEST_F(WindowTest, TheFaultThatEndedTheLastRunIsToldOnce) {
  Program run(data_);
  ErrorLog& log = run.startUp->errorLog();
  EXPECT_EQ(log.takeFatalReport(), u"");
  data_.write("Ombrelian/fatal.txt", "An unhandled error\r\n");
  EXPECT_EQ(log.takeFatalReport(), u"An unhandled error\r\n");
  EXPECT_EQ(log.takeFatalReport(), u"");
  Text shown;
  log.setPresenter([&](const Text& report) { shown = report; });
  reportFault(u"module", u"procedure", {13, u"", u"went wrong"});
  EXPECT_NE(shown.find(u"Func: procedure\r\n"), Text::npos);
  log.setPresenter({});
}

}  // namespace
}  // namespace ombrelian::ui

#include "ui/OptionsDialog.h"

#include <QDate>
#include <QPushButton>
#include <QToolTip>

#include "settings/Optionen.h"
#include "tests/testing/ScopedVariable.h"
#include "tests/ui/WindowFixture.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using namespace ombrelian::testing;

/// A program whose options dialog is opened by its command.
class OptionsDialogTest : public WindowTest {
 protected:
  /// Opens the dialog, calls `use`, and closes the dialog with `button` ("cmdOK" or "cmdCancel").
  void visit(const char* button, const std::function<void(OptionsDialog&)>& use = {}) {
    bool isMet = false;
    QTimer::singleShot(0, run_.window.get(), [&] {
      auto* const dialog = qobject_cast<OptionsDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      isMet = true;
      if (use) use(*dialog);
      dialog->findChild<QPushButton*>(QString::fromLatin1(button))->click();
    });
    EXPECT_TRUE(run_.execute({}, CommandId::OptionsDialog));
    EXPECT_TRUE(isMet);
  }

  std::string settingsFile() const { return readFile(data_.path("Ombrelian/Ombrelian3.ini")); }
  Text stored(TextView key) const {
    return run_.startUp->settings().INI_ReadString(u"Optionen", key, u"(none)");
  }

  const ScopedVariable share_{"XDG_DATA_HOME", data_.path("share")};
  Program run_{data_};
};

TEST_F(OptionsDialogTest, EveryOptionIsStoredAndTakesEffect) {
  run_.scan({tree_.text()});
  const auto dateOfSource = [this] {
    return run_.cell(ListId::Folders, 0, FolderColumnId::Modified);
  };
  EXPECT_GT(dateOfSource().size(), 4);
  visit("cmdOK", [](OptionsDialog& dialog) {
    for (QCheckBox* const box : dialog.findChildren<QCheckBox*>())
      box->setChecked(!box->isChecked());
    dialog.findChild<QComboBox*>(u"cboDate"_s)->setEditText(u"yyyy"_s);
    EXPECT_EQ(dialog.findChild<QLabel*>(u"lblDate"_s)->text(),
              u"= "_s + QDate::currentDate().toString(u"yyyy"_s));
    dialog.findChild<QComboBox*>(u"cboDate"_s)->setEditText({});
    EXPECT_GT(dialog.findChild<QLabel*>(u"lblDate"_s)->text().size(), 8) << "that of the locale";
    dialog.findChild<QComboBox*>(u"cboDate"_s)->setEditText(u"yyyy"_s);
    dialog.findChild<QComboBox*>(u"cboTheme"_s)->setCurrentIndex(8);
    for (const char16_t* const name :
         {u"txtVorschauText", u"txtVorschauIE", u"txtVorschauGrafik", u"txtVorschauMediaPlayer"}) {
      auto* const field = dialog.findChild<QLineEdit*>(QString::fromUtf16(name));
      field->setText(field->objectName().toLower());
    }
    QTimer::singleShot(0, &dialog, [] {
      auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(question, nullptr) << "texts are drawn otherwise after a new start";
      question->button(QMessageBox::No)->click();
    });
  });
  const std::pair<TextView, TextView> values[] = {{u"Kontextmenu", u"0"},
                                                  {u"Instanz", u"0"},
                                                  {u"WOW64", u"0"},
                                                  {u"UnicodeSupport", u"1"},
                                                  {u"DateFormat", u"yyyy"},
                                                  {u"ToolbarTheme", u"8"},
                                                  {u"DontCreateLogFile", u"1"},
                                                  {u"FilePreviewText", u"txtvorschautext"},
                                                  {u"FilePreviewIE", u"txtvorschauie"},
                                                  {u"FilePreviewGrafik", u"txtvorschaugrafik"},
                                                  {u"FilePreviewMedia", u"txtvorschaumediaplayer"}};
  for (const auto& [key, value] : values)
    EXPECT_EQ(stored(key), value) << toBytes(key);
  const Options& options = run_.session.options;
  EXPECT_EQ(options.DateFormat, u"yyyy");
  EXPECT_EQ(dateOfSource(), QDate::currentDate().toString(u"yyyy"_s)) << "at once";
  EXPECT_EQ(options.ToolbarTheme, 8);
  EXPECT_EQ(options.UnicodeSupport, 0) << "only after a new start";
  EXPECT_EQ(QApplication::palette(), makeTheme(8, false).palette);
  visit("cmdCancel", [](const OptionsDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QLineEdit*>(u"txtVorschauIE"_s)->text(), u"txtvorschauie"_s);
    EXPECT_EQ(dialog.findChild<QComboBox*>(u"cboDate"_s)->currentText(), u"yyyy"_s);
    QTimer::singleShot(0, [] {
      if (auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
        question->button(QMessageBox::No)->click();
    });
  });
}

TEST_F(OptionsDialogTest, CancelAndNoChangeLeaveTheFileAndTheDesign) {
  run_.startUp->settings().flush();
  const std::string before = settingsFile();
  const QPalette palette = QApplication::palette();
  visit("cmdCancel", [&](OptionsDialog& dialog) {
    dialog.findChild<QComboBox*>(u"cboTheme"_s)->setCurrentIndex(9);
    EXPECT_NE(QApplication::palette(), palette) << "the design is shown at once";
    dialog.findChild<QCheckBox*>(u"chkInstanz"_s)->toggle();
  });
  EXPECT_EQ(QApplication::palette(), palette);
  EXPECT_EQ(settingsFile(), before);
  visit("cmdOK");
  EXPECT_EQ(settingsFile(), before);
}

TEST_F(OptionsDialogTest, AnErrorOfTheShellVerbIsShownAndTheRestIsStored) {
  data_.write("share", "no folder");
  visit("cmdOK", [&](OptionsDialog& dialog) {
    dialog.findChild<QCheckBox*>(u"chkDontCreateLogFile"_s)->toggle();
    QTimer::singleShot(0, [] {
      auto* const message = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(message, nullptr);
      EXPECT_TRUE(message->text().contains(u"applications/ombrelian.desktop"_s));
      message->accept();
    });
  });
  EXPECT_EQ(stored(u"DontCreateLogFile"), u"1");
  EXPECT_EQ(stored(u"Kontextmenu"), u"1") << "it is not corrected";
}

}  // namespace
}  // namespace ombrelian::ui

#pragma once

#include "settings/SettingsTable.h"
#include "settings/z_INI.h"

namespace ombrelian {

// Reading and writing of the options. A faulty value ends the procedure that reads it: later
// settings keep their values, the fault log names the procedure, and the trace names the setting.

/// Reads section "Optionen" into `options`; a missing key gives the default. With
/// `onlyDialogOptions`, only settings that the options dialog has written and that take effect at
/// once.
void Optionen_Laden(bool onlyDialogOptions, const IniStore& file, Options& options);

/// Writes the settings of the main window.
void Optionen_Speichern(const Options& options, IniStore& file);

/// Reads the settings of the options dialog, with the defaults of the dialog, into separate
/// options.
void OptionenLaden(const IniStore& file, Options& dialogOptions);

/// Writes the settings of the options dialog.
void OptionenSpeichern(const Options& dialogOptions, IniStore& file);

/// Reads and writes the settings of any other owner.
void loadSettings(SettingOwner owner, const IniStore& file, Options& options);
void storeSettings(SettingOwner owner, const Options& options, IniStore& file);

/// Reports a stored value that ends the procedure `name`.
void reportFaultySetting(TextView module, TextView name, TextView section, TextView key,
                         TextView value);

}  // namespace ombrelian

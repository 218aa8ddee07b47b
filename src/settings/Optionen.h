#pragma once

#include "settings/SettingsTable.h"
#include "settings/z_INI.h"

namespace ombrelian {

// The options and their file. A value that is none ends the procedure that meets it: settings
// behind it keep what they had, the fault log names the procedure, the trace the setting.

/// Reads section "Optionen" into `options`; a missing key gives the default. With
/// `onlyDialogOptions` just what the options dialog has written and what is in force at once.
void Optionen_Laden(bool onlyDialogOptions, const IniStore& file, Options& options);

/// Writes what the main window owns.
void Optionen_Speichern(const Options& options, IniStore& file);

/// Reads what the options dialog shows, with its own defaults, into options of its own.
void OptionenLaden(const IniStore& file, Options& dialogOptions);

/// Writes what the options dialog owns.
void OptionenSpeichern(const Options& dialogOptions, IniStore& file);

/// Reads and writes the settings of any other owner.
void loadSettings(SettingOwner owner, const IniStore& file, Options& options);
void storeSettings(SettingOwner owner, const Options& options, IniStore& file);

/// Tells of a stored value that ends the procedure `name`.
void reportFaultySetting(TextView module, TextView name, TextView section, TextView key,
                         TextView value);

}  // namespace ombrelian

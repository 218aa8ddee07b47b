#pragma once

#include <string>

namespace ombrelian::platform {

/// Value of an environment variable; empty if it is not set.
std::string environmentVariable(const char* name);

/// Home folder of this user in the database of users; empty: none.
std::string accountHome();

/// Home folder of this user, without final separator: that of the environment, or without one that
/// of the database of users. An administrator gets the latter also if the environment names a
/// folder that another user controls. Empty: none.
std::string homeFolder();

/// Folder for the kind of files that the variable `name` stands for, such as "XDG_CONFIG_HOME";
/// `inHome` is its default in the home folder. A relative path in the variable, and for an
/// administrator a folder that another user controls, counts as none. Empty: there is no home.
std::string userFolder(const char* name, const char* inHome);

/// Whether the open `folder` is the home folder of this user in the database of users, or is below
/// it.
bool isInHome(int folder);

}  // namespace ombrelian::platform

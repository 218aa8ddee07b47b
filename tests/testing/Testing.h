// Declarations that nearly every test needs.
#pragma once

#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing/Faults.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/ScopedUser.h"
#include "tests/testing/Tables.h"
#include "tests/testing/TestFolder.h"

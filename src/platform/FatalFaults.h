#pragma once

#include "support/Text.h"

namespace ombrelian::platform {

/// Where an entry about a fault that ends the process is written, and what is known beforehand.
struct FaultPlaces {
  Text log;     // the entry is appended to this file; empty: nowhere
  Text notice;  // this file gets the entry alone, for the next start; empty: none
  Text facts;   // lines about the program and the machine, for both
};

/// From now on, a fault that ends the process, such as an access to memory that is not there,
/// leaves an entry with its name, its address and the calls that led to it, and then takes its
/// usual end, with a core file where the system is set up for it. If the entry itself fails, the
/// process ends at once. `places` is copied.
void InstallExceptionFilter(const FaultPlaces& places);

/// Ends that, and gives the faults their usual end.
void RemoveExceptionFilter();

}  // namespace ombrelian::platform

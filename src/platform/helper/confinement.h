#pragma once

#include "base/result.h"

namespace platform::helper {

/// What a process gives up before it opens anything: new privileges, being read or traced by other
/// programs of the user, a core file, outliving the program that started it; and, where the kernel
/// has Landlock, every change to files and every start of a program. Reading is left, for the
/// data of an engine. Before other threads exist.
base::Status confineToReading();

/// What it gives up before it sees a picture or a film: everything but computing in memory and
/// talking over the descriptors that it has. From here on it opens no file at all, makes no socket,
/// starts no program or process (threads are allowed), and looks at or signals no other process; a
/// refused call fails with EPERM. Its memory may grow by `memoryGrowth` bytes. For all threads of
/// the process, for good. The error is a sentence with the reason.
base::Status confineToComputing(unsigned long long memoryGrowth);

}  // namespace platform::helper

#pragma once

namespace platform::qt {

/// Keeps the toolkit from waking an idle program: its cache of pixmaps looks after itself every 30
/// seconds, and the threads that help with large paintings wait as long for more. Once, after the
/// application object was made. Main thread.
void quietToolkit();

}  // namespace platform::qt

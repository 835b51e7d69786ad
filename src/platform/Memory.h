// How the process gives memory back that it no longer uses.
#pragma once

namespace vellum::platform {

// Call once, before there is a second thread. A player begins and ends dozens of threads with each
// film; an allocator that keeps a store for every one of them holds several times what is in use.
void giveMemoryBack();

} // namespace vellum::platform

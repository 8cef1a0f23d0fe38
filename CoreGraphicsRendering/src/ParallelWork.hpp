#pragma once

// Splitting the work on one large picture (drawing bands, compressing strips)
// over the machine's cores. Items are handed out in order, one at a time, to
// whichever thread is free, so uneven items still keep every core busy.

#include <cstddef>
#include <functional>

namespace vantel::parallel {

// The threads one picture is worked on with: one per core.
unsigned threadCount();

// Calls work(i) for every i in [0, count) on up to `threads` threads, the
// caller's among them, and returns when all calls have returned. When a call
// throws, no further items are started and the first exception is rethrown
// here once the others have finished.
void forEach(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work);

}  // namespace vantel::parallel

#pragma once

// Work over independent items on every core: the batch's reading and writing of rows, whose order is
// kept by the caller (each item or chunk writes only its own slot).

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace batch {

// Calls body(begin, end) for consecutive chunks of [0, count), on up to jobs threads (0: every core);
// serially when the count fits one chunk. Returns when all chunks are done. body must not throw.
template <typename Body>
void forEachChunk(std::size_t count, std::size_t chunk, unsigned jobs, Body body)
{
    const std::size_t chunks = (count + chunk - 1) / chunk;
    const unsigned cores = jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
    const unsigned threads = static_cast<unsigned>(std::min<std::size_t>(cores, chunks));
    if (threads <= 1) {
        if (count > 0) body(std::size_t{0}, count);
        return;
    }
    std::atomic<std::size_t> next{0};
    auto worker = [&] {
        for (;;) {
            const std::size_t begin = next.fetch_add(chunk);
            if (begin >= count) return;
            body(begin, std::min(count, begin + chunk));
        }
    };
    std::vector<std::thread> pool;
    for (unsigned t = 1; t < threads; ++t) pool.emplace_back(worker);
    worker();
    for (std::thread& t : pool) t.join();
}

} // namespace batch

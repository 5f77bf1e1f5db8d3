#pragma once

#include <latch>
#include <thread>
#include <vector>

namespace Races {

/// Calls `action` with 0, 1 and so on, each on a thread of its own, all beginning at the same time.
template <typename Action>
void atOnce(unsigned count, Action action) {
    std::latch start(count);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < count; ++i) {
        threads.emplace_back([&start, &action, i] {
            start.arrive_and_wait();
            action(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace Races

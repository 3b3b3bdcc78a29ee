// Whether the receiver has a player set up for an object that shows video, as far as its page asked for one.
#pragma once

#include <cstdint>

namespace OipfJavaScript {

class PlayerHold {
 public:
    void Begin() { m_round = s_round; }
    void End() { m_round = 0; }
    [[nodiscard]] explicit operator bool() const { return m_round == s_round; }

    // All players were taken back. What a page begins after that, while it is left, it holds anew.
    static void EndAll() { ++s_round; }

 private:
    static inline uint64_t s_round = 1;
    uint64_t m_round = 0;
};

}  // namespace OipfJavaScript

#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>

// What the fuzz targets share: how a finding is reported, and how settings are taken from input.

namespace kelvane::fuzz {

// Reports a finding, which ends the run, unless the property holds.
inline void Require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", property);
    std::abort();
}

// Settings, taken from bytes one after the other. The bytes are read round and round, each time
// with other values, so that a few of them decide everything.
class Choices {
public:
    explicit Choices(std::string_view bytes)
        : m_bytes(bytes.empty() ? "0" : bytes)
    {
    }

    std::uint8_t Byte()
    {
        const std::size_t round = m_taken / m_bytes.size();
        const char byte = m_bytes[m_taken++ % m_bytes.size()];
        return static_cast<std::uint8_t>(static_cast<unsigned char>(byte) + 73 * round);
    }

    int Below(int limit) { return Byte() % limit; }
    bool Flag() { return (Byte() & 1U) != 0; }

    // Any single: mostly where arithmetic changes or a multiple of 1/8 between -5 and 20, now and
    // then any bits at all.
    float Number()
    {
        static constexpr float kEdge = std::numeric_limits<float>::infinity();
        static constexpr std::array kEdges{0.0F,   -0.0F,  1.0F,  -1.0F,  0.5F,  2.0F,
                                           1e-40F, 1e-20F, 3e38F, -3e38F, 1e20F, 1e6F,
                                           -1e9F,  1e-3F,  kEdge, -kEdge};
        const std::uint8_t kind = Byte();
        if (kind < 48)
            return kEdges[kind % kEdges.size()];
        if (kind < 248)
            return static_cast<float>(kind - 88) / 8;
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i)
            bits = bits << 8U | Byte();
        return std::bit_cast<float>(bits);
    }

private:
    std::string_view m_bytes;
    std::size_t m_taken = 0;
};

} // namespace kelvane::fuzz

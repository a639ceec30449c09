// The sizes of boards, the gap between them, and the keys that tests press.
#pragma once

#include <cstdint>

namespace end_to_end {

/// The boards' sizes in points.
inline constexpr int smallWidth = 230;
inline constexpr int smallHeight = 150;
inline constexpr int mediumWidth = 480;
inline constexpr int mediumHeight = 320;
inline constexpr int largeHeight = 490;

/// Between boards, and between boards and edges; also the step of an arrow key.
inline constexpr int gap = 20;

/// Keysyms of the X protocol.
namespace keys {
inline constexpr std::uint32_t escape = 0xff1b;
inline constexpr std::uint32_t tab = 0xff09;
inline constexpr std::uint32_t enter = 0xff0d;
inline constexpr std::uint32_t keypadEnter = 0xff8d;
inline constexpr std::uint32_t space = 0x20;
inline constexpr std::uint32_t left = 0xff51;
inline constexpr std::uint32_t up = 0xff52;
inline constexpr std::uint32_t right = 0xff53;
inline constexpr std::uint32_t down = 0xff54;
inline constexpr std::uint32_t insert = 0xff63;
inline constexpr std::uint32_t menu = 0xff67;
inline constexpr std::uint32_t numLock = 0xff7f;
inline constexpr std::uint32_t keypadEnd = 0xff9c;  // 1 with Num Lock
inline constexpr std::uint32_t f5 = 0xffc2;
inline constexpr std::uint32_t f10 = 0xffc7;
inline constexpr std::uint32_t shift = 0xffe1;
inline constexpr std::uint32_t control = 0xffe3;
inline constexpr std::uint32_t capsLock = 0xffe5;
inline constexpr std::uint32_t deletion = 0xffff;
}  // namespace keys

}  // namespace end_to_end

#pragma once

#include <chrono>
#include <string>
#include <vector>

/// What the program and the helper process say to each other: frames of byte strings, over a stream socket. A
/// frame is its length and then, for each string, its length and its bytes; lengths are 32 bits, low byte
/// first.
namespace tarvello::office {

using Frame = std::vector<std::string>;
using Deadline = std::chrono::steady_clock::time_point;

inline constexpr Deadline no_deadline = Deadline::max();

/// Longer frames are refused: they can only come from a broken peer.
inline constexpr std::size_t longest_frame = std::size_t{256} << 20;

enum class Exchange {
    done,
    closed, ///< the other side has gone, or speaks nonsense
    timeout
};

/// Sends a frame, waiting as long as the other side does not take it.
Exchange send_frame(int socket, const Frame& frame, Deadline deadline = no_deadline);

/// Waits for a frame.
Exchange receive_frame(int socket, Frame& frame, Deadline deadline = no_deadline);

/// The requests, by their first string, and their other strings. An answer is {"ok"}, or {"failed", reason},
/// the reason in Italian.
namespace request {
inline const std::string start = "start";     ///< the LibreOffice behind the helper comes to life
inline const std::string load = "load";       ///< path
inline const std::string replace = "replace"; ///< text, value
inline const std::string save = "save";       ///< path, format as an extension
inline const std::string close = "close";     ///< drops the document
} // namespace request

inline const std::string answer_ok = "ok";
inline const std::string answer_failed = "failed";

/// The descriptor at which the helper finds its socket.
inline constexpr int helper_socket = 3;

} // namespace tarvello::office

#include "platform/office/frames.h"

#include <cerrno>
#include <cstdint>

#include <poll.h>
#include <sys/socket.h>

namespace tarvello::office {
namespace {

void put_length(std::string& bytes, std::size_t length) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(length >> shift & 0xFF);
}

std::size_t get_length(const char* bytes) {
    std::size_t length = 0;
    for (int i = 3; i >= 0; --i) length = length << 8 | static_cast<unsigned char>(bytes[i]);
    return length;
}

Exchange wait(int socket, short event, Deadline deadline) {
    for (;;) {
        int milliseconds = -1;
        if (deadline != no_deadline) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Deadline::clock::now());
            if (left.count() <= 0) return Exchange::timeout;
            milliseconds = static_cast<int>(left.count());
        }
        pollfd entry{socket, event, 0};
        const int ready = ::poll(&entry, 1, milliseconds);
        if (ready > 0) return Exchange::done;
        if (ready < 0 && errno != EINTR) return Exchange::closed;
    }
}

/// Moves all bytes by `move`, waiting before each step.
template <typename Move>
Exchange move_all(int socket, short event, std::size_t size, Deadline deadline, Move move) {
    for (std::size_t done = 0; done < size;) {
        if (const Exchange waited = wait(socket, event, deadline); waited != Exchange::done) return waited;
        const ssize_t moved = move(done);
        if (moved > 0) {
            done += static_cast<std::size_t>(moved);
        } else if (moved == 0 || (errno != EINTR && errno != EAGAIN)) {
            return Exchange::closed;
        }
    }
    return Exchange::done;
}

Exchange receive(int socket, char* bytes, std::size_t size, Deadline deadline) {
    return move_all(socket, POLLIN, size, deadline, [&](std::size_t done) {
        return ::recv(socket, bytes + done, size - done, MSG_DONTWAIT);
    });
}

} // namespace

Exchange send_frame(int socket, const Frame& frame, Deadline deadline) {
    std::string body;
    for (const std::string& text : frame) {
        put_length(body, text.size());
        body += text;
    }
    std::string bytes;
    put_length(bytes, body.size());
    bytes += body;
    return move_all(socket, POLLOUT, bytes.size(), deadline, [&](std::size_t done) {
        return ::send(socket, bytes.data() + done, bytes.size() - done, MSG_DONTWAIT | MSG_NOSIGNAL);
    });
}

Exchange receive_frame(int socket, Frame& frame, Deadline deadline) {
    char head[4];
    if (const Exchange got = receive(socket, head, sizeof head, deadline); got != Exchange::done) return got;
    const std::size_t size = get_length(head);
    if (size > longest_frame) return Exchange::closed;
    std::string body(size, '\0');
    if (const Exchange got = receive(socket, body.data(), size, deadline); got != Exchange::done) return got;
    frame.clear();
    for (std::size_t at = 0; at < size;) {
        if (size - at < 4) return Exchange::closed;
        const std::size_t length = get_length(body.data() + at);
        at += 4;
        if (size - at < length) return Exchange::closed;
        frame.push_back(body.substr(at, length));
        at += length;
    }
    return Exchange::done;
}

} // namespace tarvello::office

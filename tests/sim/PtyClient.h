// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/sim/ReadFrame.h"

#include <QByteArray>

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <string>
#include <termios.h>
#include <unistd.h>
#include <vector>

/// A host reduced to the least: opens the device raw, writes commands, cuts what comes into frames.
class PtyClient
{
public:
    /// Far beyond what anything here takes; a condition that has not come by then never will.
    static constexpr std::chrono::seconds kPatience{30};

    explicit PtyClient(const QByteArray& path)
    {
        m_file = ::open(path.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        EXPECT_GE(m_file, 0) << path.constData();
        termios mode{};
        EXPECT_EQ(::tcgetattr(m_file, &mode), 0);
        ::cfmakeraw(&mode);
        EXPECT_EQ(::tcsetattr(m_file, TCSANOW, &mode), 0);
    }
    ~PtyClient() { close(); }
    PtyClient(const PtyClient&) = delete;
    PtyClient& operator=(const PtyClient&) = delete;

    void close()
    {
        if (m_file >= 0)
            ::close(m_file);
        m_file = -1;
    }

    void write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(m_file, bytes.data(), bytes.size());
            if (count > 0)
                bytes.remove_prefix(static_cast<std::size_t>(count));
            else if (!wait(POLLOUT))
                FAIL() << "the instrument takes no more bytes";
        }
    }

    /// Reads until the condition holds. False when the other end is gone or patience is at its end.
    bool readUntil(const std::function<bool()>& condition)
    {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (!condition()) {
            char buffer[16384];
            const ssize_t count = ::read(m_file, buffer, sizeof buffer);
            if (count > 0)
                take({buffer, static_cast<std::size_t>(count)});
            else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
                lost = true;
                return condition();
            } else if (!wait(POLLIN) || std::chrono::steady_clock::now() > end) {
                return condition();
            }
        }
        return true;
    }
    bool readUntilFrame(char code) { return readUntilFrames(code, 1); }
    /// Until that many frames of the code have come.
    bool readUntilFrames(char code, std::size_t count)
    {
        return readUntil([&] { return of(code).size() >= count; });
    }

    std::string codes() const { return codesOf(frames); }
    std::vector<ReadFrame> of(char code) const { return framesOf(frames, code); }
    void clear() { frames.clear(); }

    std::vector<ReadFrame> frames;
    std::string received; ///< every byte that came
    int dropped = 0;      ///< runs up to a carriage return that were no frame
    bool lost = false;

private:
    bool wait(short events) const
    {
        pollfd watched{m_file, events, 0};
        return ::poll(&watched, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) > 0;
    }
    void take(std::string_view bytes)
    {
        received.append(bytes);
        m_buffer.append(bytes);
        std::size_t from = 0;
        for (std::size_t at = m_buffer.find('\r'); at != std::string::npos && at + 1 < m_buffer.size();
             at = m_buffer.find('\r', from)) {
            const std::string_view cut = std::string_view(m_buffer).substr(from, at + 2 - from);
            from = at + 2;
            if (cut.size() == 67 && cut[1] == ':')
                frames.push_back(readFrame(cut));
            else
                ++dropped;
        }
        m_buffer.erase(0, from);
    }

    int m_file = -1;
    std::string m_buffer;
};

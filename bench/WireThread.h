// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <termios.h>
#include <thread>
#include <unistd.h>

/// The far end of a pseudo terminal on a thread of its own, so that it costs the measured thread nothing: answers
/// every request at once, and pours lines when told to.
class WireThread
{
public:
    WireThread()
    {
        m_master = posix_openpt(O_RDWR | O_NOCTTY);
        grantpt(m_master);
        unlockpt(m_master);
        m_path = ptsname(m_master);
        m_slave = ::open(m_path.c_str(), O_RDWR | O_NOCTTY);
        termios settings{};
        tcgetattr(m_slave, &settings);
        cfmakeraw(&settings);
        tcsetattr(m_slave, TCSANOW, &settings);
        m_thread = std::thread([this] { run(); });
    }
    WireThread(const WireThread &) = delete;
    WireThread &operator=(const WireThread &) = delete;
    ~WireThread()
    {
        m_stop = true;
        m_thread.join();
        ::close(m_slave);
        ::close(m_master);
    }

    [[nodiscard]] const char *path() const { return m_path.c_str(); }
    /// Pours \a lines lines of 60 bytes; \a bytesPerSecond of 0 is as fast as the terminal takes them.
    void pour(int lines, int bytesPerSecond = 0)
    {
        m_rate = bytesPerSecond;
        m_lines = lines;
    }

private:
    static constexpr int lineLength = 60;

    void run()
    {
        while (!m_stop) {
            pollfd descriptor{m_master, POLLIN, 0};
            if (poll(&descriptor, 1, 1) > 0) {
                answer();
            }
            const int lines = m_lines.exchange(0);
            for (int line = 0; line < lines && !m_stop; ++line) {
                writeLine(line);
            }
        }
    }
    void answer()
    {
        char buffer[256];
        const ssize_t count = ::read(m_master, buffer, sizeof buffer);
        m_request.append(buffer, count > 0 ? size_t(count) : 0);
        for (size_t end = m_request.find('\n'); end != std::string::npos; end = m_request.find('\n')) {
            m_request.erase(0, end + 1);
            send("+OK\r\n");
        }
    }
    void writeLine(int number)
    {
        std::string line = "line " + std::to_string(number) + ' ';
        line.resize(lineLength - 2, '.');
        send(line + "\r\n");
        if (m_rate > 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(1'000'000LL * lineLength / m_rate));
        }
    }
    void send(const std::string &text)
    {
        for (size_t done = 0; done < text.size() && !m_stop;) {
            const ssize_t count = ::write(m_master, text.data() + done, text.size() - done);
            done += count > 0 ? size_t(count) : 0;
        }
    }

    int m_master = -1;
    int m_slave = -1;
    std::string m_path;
    std::string m_request;
    std::atomic<bool> m_stop = false;
    std::atomic<int> m_lines = 0;
    std::atomic<int> m_rate = 0;
    std::thread m_thread;
};

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

// Puts load on a gateway that runs already, so that two of them, old and new, are measured in one run:
//
//   bench_gateway PORT USER PASSWORD PID
//
// The account needs some 3,000 messages. PID is the gateway's, whose memory is read.

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

struct Target
{
    in_port_t port;
    QByteArray user;
    QByteArray password;
    std::string pid;
};

double Seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

/// One connection to the gateway of this machine, which waits ten seconds at most.
class Socket final
{
public:
    explicit Socket(const Target &target)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const timeval limit{.tv_sec = 10, .tv_usec = 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(target.port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_isGood = ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    ~Socket() { ::close(m_socket); }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    void Send(const QByteArray &bytes)
    {
        for (qsizetype sent = 0; m_isGood && sent < bytes.size();) {
            const ssize_t count =
                ::send(m_socket, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
            m_isGood = count > 0;
            sent += count;
        }
    }
    /// Whether the reply comes whole, with a log-on that succeeded.
    [[nodiscard]] bool HearsOk()
    {
        QByteArray reply;
        char bytes[16 * 1024];
        ssize_t count = 1;
        while (m_isGood && count > 0) {
            count = ::recv(m_socket, bytes, sizeof bytes, 0);
            reply.append(bytes, std::max<ssize_t>(count, 0));
        }
        return count == 0 && reply.contains("<LOGON>OK</LOGON>") && reply.contains("</BAL>");
    }

private:
    const int m_socket;
    bool m_isGood;
};

/// A post of so many messages to `number`.
QByteArray Post(const Target &target, const QByteArray &number, int messages)
{
    const QByteArray message =
        "       <MSG> \r\n           <OP>1</OP>\r\n           <TEXT>Hello</TEXT>\r\n           <RCV>" + number +
        "</RCV>\r\n           <NAME>Bob</NAME>\r\n       </MSG>\r\n";
    const QByteArray document = "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>" + target.user +
                                "</CLIENT> \r\n   <PW>" + target.password +
                                "</PW>\r\n   <VERSION>1</VERSION>\r\n   <MSGLST>\r\n" + message.repeated(messages) +
                                "   </MSGLST>\r\n</SESSION>\r\n";
    const QByteArray body = "XML=" + document.toPercentEncoding();
    return "POST /brevio/gateway/gateway.php HTTP/1.1\r\nHost: localhost\r\nContent-Length: " +
           QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray OnePost(const Target &target)
{
    return Post(target, "447700900123", 1);
}

void AtOnce(const Target &target)
{
    constexpr int kPosts = 200;
    const QByteArray post = OnePost(target);
    std::atomic<int> answered = 0;
    const auto start = Clock::now();
    {
        std::vector<std::jthread> clients;
        for (int i = 0; i < kPosts; ++i) {
            clients.emplace_back([&] {
                Socket socket(target);
                socket.Send(post);
                answered += socket.HearsOk() ? 1 : 0;
            });
        }
    }
    std::printf("%d posts at once: %d answered, in %.2f s\n", kPosts, answered.load(), Seconds(Clock::now() - start));
}

void Stream(const Target &target)
{
    constexpr int kClients = 20;
    constexpr int kPostsEach = 100;
    const QByteArray post = OnePost(target);
    std::atomic<int> answered = 0;
    std::vector<Clock::duration> longest(kClients);
    const auto start = Clock::now();
    {
        std::vector<std::jthread> clients;
        for (Clock::duration &mine : longest) {
            clients.emplace_back([&] {
                for (int i = 0; i < kPostsEach; ++i) {
                    const auto begin = Clock::now();
                    Socket socket(target);
                    socket.Send(post);
                    answered += socket.HearsOk() ? 1 : 0;
                    mine = std::max(mine, Clock::now() - begin);
                }
            });
        }
    }
    const double seconds = Seconds(Clock::now() - start);
    std::printf("%d posts from %d clients: %d answered, %.0f a second, the slowest in %.2f s\n", kClients * kPostsEach,
                kClients, answered.load(), answered / seconds,
                Seconds(*std::max_element(longest.cbegin(), longest.cend())));
}

void BesideSlowClients(const Target &target)
{
    constexpr int kSlow = 32;
    const QByteArray post = OnePost(target);
    std::vector<std::jthread> slow;
    for (int i = 0; i < kSlow; ++i) {
        slow.emplace_back([&](const std::stop_token &token) {
            while (!token.stop_requested()) {
                Socket socket(target);
                // One that was ended comes again; its reply is not waited for.
                for (int sent = 0; sent < 4 && !token.stop_requested(); ++sent) {
                    socket.Send(post.mid(sent, 1));
                    for (int wait = 0; wait < 20 && !token.stop_requested(); ++wait)
                        std::this_thread::sleep_for(100ms);
                }
            }
        });
    }
    std::this_thread::sleep_for(500ms);
    Clock::duration longest{};
    int answered = 0;
    int tried = 0;
    // A gateway that they shut is not tried for long.
    for (const auto start = Clock::now(); tried < 20 && Clock::now() - start < 15s; ++tried) {
        const auto begin = Clock::now();
        Socket socket(target);
        socket.Send(post);
        answered += socket.HearsOk() ? 1 : 0;
        longest = std::max(longest, Clock::now() - begin);
        std::this_thread::sleep_for(200ms);
    }
    std::printf("beside %d clients that send a byte every two seconds: %d of %d answered, the slowest in %.2f s\n",
                kSlow, answered, tried, Seconds(longest));
}

/// A value in kB of the gateway's status, in MiB.
double Memory(const Target &target, const std::string &name)
{
    std::ifstream status("/proc/" + target.pid + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":"))
            return std::strtod(line.c_str() + name.size() + 1, nullptr) / 1024;
    }
    return 0;
}

/// Bodies of 8 MiB, all of them there but for their last byte before the first is whole.
void LargeBodies(const Target &target)
{
    constexpr int kBodies = 8;
    constexpr qsizetype kSize = 8 << 20;
    // Refused, so that it costs nothing, but with a verdict each.
    const auto each = Post(target, "0", 1001).size() - Post(target, "0", 1).size();
    const QByteArray post = Post(target, "0", static_cast<int>((kSize - 1024) * 1000 / each));
    std::ofstream("/proc/" + target.pid + "/clear_refs") << 5;
    const double before = Memory(target, "VmRSS");
    std::vector<std::unique_ptr<Socket>> sockets;
    for (int i = 0; i < kBodies; ++i) {
        sockets.push_back(std::make_unique<Socket>(target));
        sockets.back()->Send(post.chopped(1));
    }
    for (const auto &socket : sockets)
        socket->Send(post.last(1));
    int answered = 0;
    for (const auto &socket : sockets)
        answered += socket->HearsOk() ? 1 : 0;
    std::printf("%d bodies of %.1f MiB at once: %d answered, memory %.0f MiB before, %.0f at most, %.0f after\n",
                kBodies, static_cast<double>(post.size()) / (1 << 20), answered, before, Memory(target, "VmHWM"),
                Memory(target, "VmRSS"));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 5) {
        std::fputs("bench_gateway PORT USER PASSWORD PID\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const Target target{static_cast<in_port_t>(std::strtoul(argv[1], nullptr, 10)), argv[2], argv[3], argv[4]};
    AtOnce(target);
    Stream(target);
    BesideSlowClients(target);
    LargeBodies(target);
    return 0;
}

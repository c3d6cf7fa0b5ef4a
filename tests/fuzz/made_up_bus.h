#pragma once

#include <cstdint>
#include <thread>
#include <vector>

#include "bus_message.h"

namespace fuzz {

/// In a program with this there is no other session bus: the bus library connects to it, and it is
/// the bus and every other program on it.
///
/// Until `takeOver` a thread answers what the program asks while it starts, as a bus without any
/// other program does. From then on nothing is answered but by who holds this.
class MadeUpBus {
  public:
    /// Makes itself the session bus of this process; before the first connection.
    MadeUpBus();
    ~MadeUpBus();
    MadeUpBus(const MadeUpBus&) = delete;
    MadeUpBus& operator=(const MadeUpBus&) = delete;

    /// Ends the thread, when the program has started.
    void takeOver();
    /// Sends all of it; gives the serial number that each message gets.
    std::uint32_t send(Message message);
    /// Every message that the program has sent by the time when it answers a question that is asked
    /// now. Ends the program as a crash when it does not answer, or has gone from the bus.
    std::vector<Message> exchange();

    /// The answer of a bus that nobody else is on.
    static Message answerTo(const Message& call);

  private:
    void serve();
    void greet();
    std::uint32_t ask();
    void askAndCollect(std::vector<Message>& messages);
    void flush();
    /// Waits for more bytes of the program.
    bool receive(int patienceMilliseconds);

    int listener_ = -1;
    int program_ = -1;
    int end_ = -1;
    std::uint32_t serial_ = 0;
    std::vector<std::uint8_t> received_;
    std::vector<std::uint8_t> outgoing_;
    std::thread thread_;
};

}  // namespace fuzz

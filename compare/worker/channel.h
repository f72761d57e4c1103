#pragma once

#include <string>

#include "message.h"

// The worker's end of the conversation.
namespace compare {

class Channel {
public:
    Channel(int ordersFile, int answersFile) : m_orders(ordersFile), m_answers(answersFile) {}
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    // Ends the process when nobody listens any more.
    void say(const Answer& answer) const;
    // Waits for an order. Ends the process at "quit", at the end of the conversation and at
    // anything that is no order.
    Order hear();

private:
    std::string line();

    int m_orders;
    int m_answers;
    std::string m_unread;
};

} // namespace compare

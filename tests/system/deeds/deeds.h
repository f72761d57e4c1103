#pragma once

#include <string>
#include <vector>

// What a call has been given. The return address lies between the sixth argument, the last in a
// register, and the seventh.
class Arguments {
public:
    explicit Arguments(long* words) : m_words(words) {}
    long& operator[](int number) const { return m_words[number <= 6 ? number - 1 : number]; }

private:
    long* m_words; // from the first
};

// What a call does: not 0 answers it with the status, 0 hands it on to the real function.
struct Answer {
    long isAnswered;
    long status;
};

using Words = std::vector<std::string>;

// Does the deed, of which words has the name and what belongs to it.
Answer commitDeed(const Words& words, const Arguments& arguments);

// Ends the process: nobody would see that a test asks for nothing.
[[noreturn]] void refuse(const std::string& why);

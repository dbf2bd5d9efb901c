#pragma once

#include <Message_SequenceOfPrinters.hxx>

#include <functional>
#include <streambuf>

namespace vrn::host {

/// While it lives, OpenCASCADE's messages and what is written to std::cout go nowhere: its readers
/// report on standard output, where the host's results go. Not for several at once. Thread: any
/// one, with no other one reading or writing.
class QuietOcct {
public:
    QuietOcct();
    ~QuietOcct();
    QuietOcct(const QuietOcct&) = delete;
    QuietOcct& operator=(const QuietOcct&) = delete;

private:
    Message_SequenceOfPrinters printers;
    std::streambuf* output;
};

/// Runs `work`; an exception of OpenCASCADE, which is no std::exception, becomes a
/// std::runtime_error of `what` and its own message.
void WithOcctErrors(const char* what, const std::function<void()>& work);

}  // namespace vrn::host

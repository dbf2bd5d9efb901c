#include "apps/vrnview/readers/OcctGuard.h"

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Standard_Failure.hxx>

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vrn::host {

namespace {

class NoWhere : public std::streambuf {
    int overflow(int c) override { return c == EOF ? 0 : c; }
};

NoWhere& Sink() {
    static NoWhere sink;
    return sink;
}

}  // namespace

QuietOcct::QuietOcct() : output(std::cout.rdbuf(&Sink())) {
    printers = Message::DefaultMessenger()->Printers();
    Message::DefaultMessenger()->ChangePrinters().Clear();
}

QuietOcct::~QuietOcct() {
    std::cout.rdbuf(output);
    Message::DefaultMessenger()->ChangePrinters() = printers;
}

void WithOcctErrors(const char* what, const std::function<void()>& work) {
    try {
        work();
    } catch (const Standard_Failure& failure) {
        const std::string_view reason = failure.GetMessageString();
        throw std::runtime_error(
            std::string(what) + ": " +
            std::string(reason.empty() ? failure.DynamicType()->Name() : reason));
    }
}

}  // namespace vrn::host

#include "apps/vrnview/readers/OcctGuard.h"

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Standard_Failure.hxx>

#include <stdexcept>
#include <string>
#include <string_view>

namespace vrn::host {

QuietOcct::QuietOcct() {
    printers = Message::DefaultMessenger()->Printers();
    Message::DefaultMessenger()->ChangePrinters().Clear();
}

QuietOcct::~QuietOcct() { Message::DefaultMessenger()->ChangePrinters() = printers; }

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

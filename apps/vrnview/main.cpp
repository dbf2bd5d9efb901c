#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "apps/vrnview/Commands.h"
#include "apps/vrnview/Failure.h"
#include "apps/vrnview/Options.h"

int main(int argc, char** argv) {
    try {
        const auto [options, end] =
            vrn::host::ParseOptions(std::vector<std::string>(argv + 1, argv + argc));
        if (end) {
            (end->status == 0 ? std::cout : std::cerr) << end->text;
            return end->status;
        }
        const int status = vrn::host::RunCommand(*options);
        // Results that did not arrive (a full disc, a closed pipe) are a failure too.
        if (!std::cout.flush()) {
            std::cerr << "vrnview: standard output could not be written\n";
            return 1;
        }
        return status;
    } catch (const std::exception& error) {
        std::cerr << "vrnview: " << vrn::host::ReasonOf(error) << '\n';
        return 1;
    }
}

#include "apps/vrnview/TempFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace vrn::host {

TempFolder::TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vrnview-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(),
                                "cannot make a folder like " + name);
    path = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;  // a file left behind in the temporary directory breaks nothing
    std::filesystem::remove_all(path, ignored);
}

}  // namespace vrn::host

#pragma once

#include <filesystem>
#include <fstream>

namespace vrn::headless {

/// A file that stands under its name whole or not at all.
///
///     WholeFile file("picture.png");
///     file.stream().write(...);
///     file.commit();
///
/// It is written beside its place under a name that nothing has, and then renamed: a reader never
/// meets half of it. A symbolic link stays one, what it leads to is written. What is there and is
/// no regular file (a FIFO, a device) has no other name to be written under, and is written as it
/// comes.
///
/// Both operations throw std::runtime_error, naming the file and the reason. Thread: one at a time.
class WholeFile {
public:
    explicit WholeFile(std::filesystem::path wanted);
    /// Without commit() nothing is left but what was there before.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    [[nodiscard]] std::ofstream& stream() { return out; }
    /// Ends the writing; also what failed in the stream before is told here.
    void commit();

private:
    void openBeside();

    std::filesystem::path file;          ///< as the user calls it
    std::filesystem::path target, part;  ///< `part` is empty where the target itself is written
    std::ofstream out;
};

}  // namespace vrn::headless

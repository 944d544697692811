#include "OutputFile.h"

#include "Options.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace cli {

void checkInputFile(std::string_view command, const std::string& file)
{
    if (file == "-") return;
    const std::string name(command);
    std::error_code ec;
    const auto status = std::filesystem::status(file, ec);
    if (std::filesystem::is_directory(status))
        throw InputError(name + ": '" + file + "' is a directory; give a CSV or JSON Lines file");
    if (ec || !std::filesystem::exists(status)) throw InputError(name + ": the file '" + file + "' does not exist");
}

bool sameFile(const std::string& a, const std::string& b)
{
    struct stat sa {}, sb {};
    if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

void checkOutputPath(std::string_view option, const std::string& path, const std::string& input)
{
    const std::string name(option);
    if (path.empty()) throw InputError(name + ": a file name is needed");
    if (!input.empty() && input != "-" && sameFile(input, path))
        throw InputError(name + ": '" + path + "' is the input file; it would be overwritten");
    if (std::filesystem::is_directory(path)) throw InputError(name + ": '" + path + "' is a directory");
}

void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text)
{
    const std::string name(option), temporary = path + ".part";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (out) out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.close();
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            throw InputError(name + ": cannot write '" + path + "'");
        }
    }
    std::error_code ec;
    std::filesystem::rename(temporary, path, ec);
    if (ec) {
        std::filesystem::remove(temporary, ec);
        throw InputError(name + ": cannot write '" + path + "'");
    }
}

} // namespace cli

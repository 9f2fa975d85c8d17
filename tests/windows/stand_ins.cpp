// Stands in for the tools of Windows that the script of an update calls and Wine lacks, by the name
// that it is copied to. Each does what the script asks of it and no more.

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::wstring>;

std::wstring after(const Words &words, const wchar_t *option)
{
    const auto found = std::find(words.begin(), words.end(), option);
    return found == words.end() || std::next(found) == words.end() ? L"" : *std::next(found);
}

int timeout(const Words &words)
{
    Sleep(1000 * static_cast<DWORD>(std::stoul(after(words, L"/t"))));
    return 0;
}

/// Prints the process of "PID eq NUMBER" while it lives.
int tasklist(const Words &words)
{
    const std::wstring filter = after(words, L"/FI");
    const auto id = static_cast<DWORD>(std::stoul(filter.substr(filter.rfind(L' '))));
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
    if (process != nullptr && WaitForSingleObject(process, 0) == WAIT_TIMEOUT)
        std::cout << "a.exe " << id << std::endl;
    return 0;
}

int find(const Words &words)
{
    const std::wstring wanted = after(words, L"/I");
    const std::string input{std::istreambuf_iterator<char>(std::cin), {}};
    return input.find(std::string(wanted.begin(), wanted.end())) == std::string::npos ? 1 : 0;
}

void copy_but(const fs::path &from, const fs::path &to, const fs::path &left_out)
{
    fs::create_directories(to);
    for (const fs::directory_entry &entry : fs::directory_iterator(from)) {
        if (entry.path() == left_out)
            continue;
        if (entry.is_directory())
            copy_but(entry, to / entry.path().filename(), left_out);
        else if (CopyFileW(entry.path().c_str(), (to / entry.path().filename()).c_str(), FALSE) ==
                 FALSE)
            throw std::runtime_error("cannot copy " + entry.path().string());
    }
}

int robocopy(const Words &words)
{
    copy_but(words.at(1), words.at(2), after(words, L"/XD"));
    return 1; // something was copied
}

/// Expand-Archive, where what it would unpack lies beside the archive.
int powershell(const Words &words)
{
    const std::wstring &command = words.back();
    const auto quoted = [&command](const wchar_t *option) {
        const size_t begin = command.find(L'\'', command.find(option)) + 1;
        return command.substr(begin, command.find(L'\'', begin) - begin);
    };
    copy_but(quoted(L" -Path") + L".unpacked", quoted(L" -DestinationPath"), {});
    return 0;
}

} // namespace

int main()
{
    int count = 0;
    wchar_t **arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const Words words(arguments, arguments + count);
    const std::map<std::wstring, int (*)(const Words &)> tools = {{L"find", find},
                                                                  {L"powershell", powershell},
                                                                  {L"robocopy", robocopy},
                                                                  {L"tasklist", tasklist},
                                                                  {L"timeout", timeout}};
    try {
        return tools.at(fs::path(words.at(0)).stem().wstring())(words);
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << std::endl;
        return 16;
    }
}

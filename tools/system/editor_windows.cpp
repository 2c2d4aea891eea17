#include "system/editor.h"

#include <cstdlib>
#include <process.h>
#include <random>
#include <string>

namespace host {

namespace {

std::wstring EditorProgram()
{
    for (const wchar_t* variable : {L"VISUAL", L"EDITOR"})
        if (const wchar_t* const program = _wgetenv(variable); program && *program)
            return program;
    return L"notepad.exe";
}

} // namespace

// The folder for temporary files is the user's own.
std::filesystem::path MakeEditingFolder()
{
    const auto folder = std::filesystem::temp_directory_path() / ("phnctl-" + std::to_string(std::random_device()()));
    std::filesystem::create_directory(folder);
    return folder;
}

bool Edit(const std::filesystem::path& file)
{
    const std::wstring program = EditorProgram();
    const std::wstring argument = L'"' + file.wstring() + L'"';
    return _wspawnlp(_P_WAIT, program.c_str(), program.c_str(), argument.c_str(), nullptr) == 0;
}

} // namespace host

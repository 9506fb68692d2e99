// A console program for the tests of starting programs. Its first argument says what it does with the others:
//   print TEXT ...       writes each text between brackets
//   save FILE TEXT ...   the same into a new file, which is whole when it has its name
//   bytes COUNT          writes COUNT letters in two parts
//   exit CODE            ends with that exit code
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void printTexts(std::FILE* target, char** texts) {
    for (; *texts != nullptr; ++texts)
        std::fprintf(target, "[%s]", *texts);
}

int save(char** arguments) {
    const std::string unfinished = std::string(arguments[0]) + "~";
    std::FILE* file = std::fopen(unfinished.c_str(), "wb");
    if (file == nullptr)
        return 1;
    printTexts(file, arguments + 1);
    std::fclose(file);
    return std::rename(unfinished.c_str(), arguments[0]);
}

void printBytes(std::size_t count) {
    std::string letters(count, ' ');
    for (std::size_t i = 0; i < count; ++i)
        letters[i] = static_cast<char>('a' + i % 23);
    std::fwrite(letters.data(), 1, count / 3, stdout);
    std::fflush(stdout);
    std::fwrite(letters.data() + count / 3, 1, count - count / 3, stdout);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3)
        return 99;
    const std::string action = arguments[1];
    if (action == "print")
        printTexts(stdout, arguments + 2);
    else if (action == "save")
        return save(arguments + 2);
    else if (action == "bytes")
        printBytes(std::strtoul(arguments[2], nullptr, 10));
    else if (action == "exit")
        return std::atoi(arguments[2]);
    return 0;
}

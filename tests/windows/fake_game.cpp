// Stands in for the game: a window with its title and an honor roll on the heap. Says "ready
// ADDRESS" on its output and ends with its input.

#include "fake_game/roll_image.h"

#include <windows.h>

#include <iostream>
#include <thread>

int main()
{
    using namespace tally::test;

    HWND window =
        CreateWindowExW(0, L"STATIC", L"Rise of Kingdoms", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 120,
                        90, 640, 360, nullptr, nullptr, nullptr, nullptr);
    const std::string roll = roll_image(roll_people(300, 120));
    std::cout << "ready " << reinterpret_cast<std::uintptr_t>(roll.data()) << std::endl;
    std::thread([window] {
        std::string word;
        while (std::getline(std::cin, word)) {
            if (word == "minimise")
                ShowWindowAsync(window, SW_MINIMIZE);
        }
        std::_Exit(0);
    }).detach();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

// Windows: the library stays in the process once it has been loaded. The C++ runtime inside it takes an index of
// thread-local storage with every load and does not give it back when it is unloaded; a process has 1088 of them, and
// the load after the last one would end it.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        HMODULE self = nullptr;
        // Without it the library works as well, for a thousand loads.
        static_cast<void>(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                                             reinterpret_cast<LPCWSTR>(&DllMain), &self));
    }
    return TRUE;
}

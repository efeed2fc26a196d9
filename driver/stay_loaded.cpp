// Windows: keeps the library in the process once it has been loaded. The C++ runtime inside it allocates an index of
// thread-local storage with every load and does not free it when it is unloaded. A process has 1088 indexes; the load
// after the last one would terminate it.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        HMODULE self = nullptr;
        // On failure the library still works, for about a thousand loads.
        static_cast<void>(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                                             reinterpret_cast<LPCWSTR>(&DllMain), &self));
    }
    return TRUE;
}

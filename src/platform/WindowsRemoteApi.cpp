#include "platform/WindowsRemoteApi.h"

#ifdef _WIN32

#include <windows.h>

#include <set>
#include <utility>

#include "platform/NativeFile.h"

namespace vantor {
namespace {

/// The service's own record. On 64-bit Windows its handle is wider than the 12 bytes of the classic record.
struct NativeInit {
    DWORD Size;
    HANDLE InitEvent;
    HRESULT InitResult;
};

/// The system's record of a found file as the device writes it: the device has no short names.
struct NativeFoundFile {
    DWORD Attributes;
    FILETIME Times[3];
    DWORD SizeHigh;
    DWORD SizeLow;
    DWORD ObjectId;
    WCHAR Name[MAX_PATH];
};

HANDLE Native(RemoteApi::Handle handle) { return reinterpret_cast<HANDLE>(handle); }
RemoteApi::Handle Portable(HANDLE handle) { return reinterpret_cast<RemoteApi::Handle>(handle); }

}  // namespace

struct WindowsRemoteApi::Library {
    HMODULE Module = nullptr;
    HRESULT(STDAPICALLTYPE* RapiInitEx)(NativeInit*) = nullptr;
    HRESULT(STDAPICALLTYPE* RapiUninit)() = nullptr;
    HRESULT(STDAPICALLTYPE* RapiGetError)() = nullptr;
    HANDLE(STDAPICALLTYPE* CreateDeviceFile)
    (LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) = nullptr;
    BOOL(STDAPICALLTYPE* ReadDeviceFile)(HANDLE, LPVOID, DWORD, LPDWORD, LPOVERLAPPED) = nullptr;
    BOOL(STDAPICALLTYPE* WriteDeviceFile)(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) = nullptr;
    DWORD(STDAPICALLTYPE* DeviceFileSize)(HANDLE, LPDWORD) = nullptr;
    HANDLE(STDAPICALLTYPE* FindFirst)(LPCWSTR, NativeFoundFile*) = nullptr;
    BOOL(STDAPICALLTYPE* FindEnd)(HANDLE) = nullptr;
    BOOL(STDAPICALLTYPE* CloseDeviceHandle)(HANDLE) = nullptr;

    /// Filled by the service whenever the connection comes to stand, `Asked` is where its result is passed on to.
    NativeInit Init{};
    RapiInit* Asked = nullptr;
    /// Searches are not closed as files are.
    std::set<HANDLE> Searches;

    Library() = default;
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (Module != nullptr) FreeLibrary(Module);
    }

    template <class Function>
    bool Find(Function& function, const char* name) const {
        function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(Module, name)));
        return function != nullptr;
    }
};

WindowsRemoteApi::WindowsRemoteApi(std::unique_ptr<Library> library) : library_(std::move(library)) {}
WindowsRemoteApi::~WindowsRemoteApi() = default;

std::unique_ptr<WindowsRemoteApi> WindowsRemoteApi::Load() {
    auto library = std::make_unique<Library>();
    // From the system's folder alone: a library of that name beside a study is none of the service's.
    library->Module = LoadLibraryExW(L"rapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library->Module == nullptr) return nullptr;
    const Library& from = *library;
    const bool isWhole =
        from.Find(library->RapiInitEx, "CeRapiInitEx") && from.Find(library->RapiUninit, "CeRapiUninit") &&
        from.Find(library->RapiGetError, "CeRapiGetError") && from.Find(library->CreateDeviceFile, "CeCreateFile") &&
        from.Find(library->ReadDeviceFile, "CeReadFile") && from.Find(library->WriteDeviceFile, "CeWriteFile") &&
        from.Find(library->DeviceFileSize, "CeGetFileSize") && from.Find(library->FindFirst, "CeFindFirstFile") &&
        from.Find(library->FindEnd, "CeFindClose") && from.Find(library->CloseDeviceHandle, "CeCloseHandle");
    if (!isWhole) return nullptr;
    return std::unique_ptr<WindowsRemoteApi>(new WindowsRemoteApi(std::move(library)));
}

std::int32_t WindowsRemoteApi::CeRapiInitEx(RapiInit& init) {
    library_->Init = {sizeof(NativeInit), nullptr, S_OK};
    library_->Asked = &init;
    const HRESULT result = library_->RapiInitEx(&library_->Init);
    init.InitEvent = Portable(library_->Init.InitEvent);
    init.InitResult = library_->Init.InitResult;
    return result;
}

RemoteApi::WaitResult WindowsRemoteApi::WaitForSingleObject(Handle event, std::uint32_t milliseconds) {
    const DWORD waited = ::WaitForSingleObject(Native(event), milliseconds);
    if (library_->Asked != nullptr) library_->Asked->InitResult = library_->Init.InitResult;
    return waited == WAIT_OBJECT_0 ? WaitResult::Signalled : WaitResult::TimedOut;
}

void WindowsRemoteApi::CeRapiUninit() {
    library_->RapiUninit();
    library_->Asked = nullptr;
    library_->Searches.clear();
}

std::int32_t WindowsRemoteApi::CeRapiGetError() { return library_->RapiGetError(); }

RemoteApi::Handle WindowsRemoteApi::CeCreateFile(const std::string& path, Access access, Creation creation) {
    return Portable(library_->CreateDeviceFile(
        NativePath(path).c_str(), access == Access::Read ? GENERIC_READ : GENERIC_WRITE, FILE_SHARE_READ, nullptr,
        creation == Creation::OpenExisting ? OPEN_EXISTING : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool WindowsRemoteApi::CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) {
    DWORD count = 0;
    const BOOL done =
        library_->ReadDeviceFile(Native(file), into.data(), static_cast<DWORD>(into.size()), &count, nullptr);
    read = count;
    return done != FALSE;
}

bool WindowsRemoteApi::CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) {
    DWORD count = 0;
    const BOOL done =
        library_->WriteDeviceFile(Native(file), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
    written = count;
    return done != FALSE;
}

std::uint32_t WindowsRemoteApi::CeGetFileSize(Handle file) { return library_->DeviceFileSize(Native(file), nullptr); }

RemoteApi::Handle WindowsRemoteApi::CeFindFirstFile(const std::string& path) {
    NativeFoundFile found{};
    const HANDLE search = library_->FindFirst(NativePath(path).c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) library_->Searches.insert(search);
    return Portable(search);
}

void WindowsRemoteApi::CeCloseHandle(Handle handle) {
    if (library_->Searches.erase(Native(handle)) != 0)
        library_->FindEnd(Native(handle));
    else
        library_->CloseDeviceHandle(Native(handle));
}

}  // namespace vantor

#endif

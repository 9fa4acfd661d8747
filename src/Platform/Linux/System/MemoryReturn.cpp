#include "Platform/Linux/System/MemoryReturn.h"

#include <algorithm>
#include <cstdint>
#include <link.h>
#include <malloc.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// A library that the loader has to write into its code has pages there that no file could bring back.
bool hasRelocatedCode(const dl_phdr_info &library)
{
    const std::span headers(library.dlpi_phdr, library.dlpi_phnum);
    const auto dynamic = std::ranges::find(headers, Elf64_Word(PT_DYNAMIC), &Elf64_Phdr::p_type);
    if (dynamic == headers.end())
        return true;
    const auto *entry = reinterpret_cast<const Elf64_Dyn *>(library.dlpi_addr + dynamic->p_vaddr);
    for (; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_TEXTREL || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0))
            return true;
    }
    return false;
}

/// The loader holds its lock meanwhile, so that no library goes away.
int returnPages(dl_phdr_info *library, size_t /*size*/, void * /*data*/)
{
    if (hasRelocatedCode(*library))
        return 0;
    const auto page = static_cast<uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (const Elf64_Phdr &segment : std::span(library->dlpi_phdr, library->dlpi_phnum)) {
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0)
            continue;
        const uintptr_t start = (library->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const uintptr_t end = library->dlpi_addr + segment.p_vaddr + segment.p_filesz;
        ::madvise(reinterpret_cast<void *>(start), end - start, MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void returnUnusedMemory()
{
    ::malloc_trim(0);
    ::dl_iterate_phdr(returnPages, nullptr);
}

} // namespace Quillmere

// The C++ face of the array API: owning pointers, text helpers, copies, and
// the error channel of built-in functions.
#pragma once

#include <memory>
#include <string>

#include "foundation/PlatformExport.h"
#include "foundation/core/except/IMsgIDException.h"
#include "vx/vxTypes.h"

namespace matrix {
namespace detail {

// Deleter of the owning form: destroys one reference.
struct VX_API vxDestroy_deleter {
  void operator()(vxArray* array) const noexcept;
};

// A deep copy, owned by the caller.
VX_API vxArray* do_deep_copy(const vxArray* array);
// A shared copy, owned by the caller.
VX_API vxArray* do_shared_copy(const vxArray* array);

// Raises the exception through the array API's error channel.
[[noreturn]] VX_API void do_legacy_vx_error(const foundation::core::except::IMsgIDException& error);

// The standard argument-count errors of a built-in function.
[[noreturn]] VX_API void error_minrhs();
[[noreturn]] VX_API void error_maxrhs();
[[noreturn]] VX_API void error_maxlhs();

}  // namespace detail

using unique_vxArray = std::unique_ptr<vxArray, detail::vxDestroy_deleter>;

// Takes ownership of a raw array.
inline unique_vxArray from_vantel(vxArray* raw) noexcept { return unique_vxArray(raw); }
// Hands ownership back as a raw pointer.
inline vxArray* to_vantel(unique_vxArray owned) noexcept { return owned.release(); }

// A 1-by-length char row from UTF-16 text.
VX_API unique_vxArray create(const char16_t* text, std::size_t length);
VX_API unique_vxArray create(std::u16string_view text);
// The UTF-16 text of a char array or scalar string.
VX_API std::u16string get_ustring(const vxArray* array);

// Destroys one reference to the array.
VX_API void destroyArray(vxArray* array) noexcept;

}  // namespace matrix

// The array's own reference count: a holder that must keep the very same
// array (not a copy) alive takes a reference; matrix::destroyArray drops one
// and destroys the array when none is left.
VX_API void intrusive_ptr_add_ref(vxArray* array) noexcept;
VX_API void intrusive_ptr_release(vxArray* array) noexcept;
// References held beyond the creator's (0 for an array with only its creator).
VX_API unsigned vxGetSharedCopyCount(const vxArray* array) noexcept;

#pragma once

/// A loaded module, named as the system names it: on POSIX systems what dlopen returned, cast to this type. Null is the
/// program itself.
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;

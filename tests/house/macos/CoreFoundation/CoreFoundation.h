// Of macOS's CoreFoundation what localization/Language.cpp asks for, as its public documentation
// declares it: the cross compiler of ./check macos brings the C library's headers and no framework.
#pragma once

extern "C" {

typedef const void* CFTypeRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFString* CFStringRef;
typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned char Boolean;
typedef unsigned int CFStringEncoding;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
CFTypeID CFStringGetTypeID(void);
Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size, CFStringEncoding encoding);
CFArrayRef CFLocaleCopyPreferredLanguages(void);
}

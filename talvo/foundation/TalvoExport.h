/// @file
/// Symbol visibility for the shared library.
///
/// The library is built with hidden visibility; TALVO_API marks the classes
/// and functions that form its public interface.
#pragma once

#if defined(_WIN32)
#  if defined(TALVO_BUILDING_LIBRARY)
#    define TALVO_API __declspec(dllexport)
#  else
#    define TALVO_API __declspec(dllimport)
#  endif
#else
/// Marks a class or function of the public interface as exported.
#  define TALVO_API __attribute__((visibility("default")))
#endif

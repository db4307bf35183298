// Everything a host needs to embed the library, and the contract between them in one place.
//
// Start and stop
//   KXInitialize_orbdatatypes(nullptr) registers every data type with the class system; the class
//   system registers its own built-in types ("any", "double", "asciiString") when it is first used, so
//   nothing else comes first. Starts and stops are counted; KXTerminate_orbdatatypes() ends a start.
//   Everything runs on the host's thread.
//
// Reaching a type and its conversions, by full name ("korvax.graphics.datatype.RGBAColor")
//   objsys::COSTypeRepository::getType(name)                      the data type
//   objsys::COSTypeRepository::getConversion("any", name)         host arrays <-> values
//   objsys::COSTypeRepository::getConversion("asciiString", name) text <-> values
//   objsys::JavaTypeConversion::getConversion(name)               Java objects <-> values
//   All four are owned by the class system for the life of the process: never freed.
//
// Who frees what
//   what                                              freed with
//   a value: conversion->from(...), type->copy(v)     type->destroy(value)
//   the default: type->getDefaultValue()              nothing (shared; never destroy it)
//   an array: arrays->to(value)                       zxDestroyArray(array), or the call frame it was
//                                                     made in when that frame ends
//   a text: texts->to(value)                          utFree(text)
//   a Java object: java->toJava(value)                env->DeleteLocalRef(object) (a local reference)
//   the array or text handed to from(...)             stays the caller's: the value keeps its own
//   a caught refusal                                  nothing (caught by reference); copy() gives a
//                                                     unique_ptr, an exception slot (boost::exception_ptr)
//                                                     is re-raised with zxReThrowException
//
// Refusals
//   A refused value stores nothing and raises an fl::except::IMsgIDException: get_error_id() is its
//   identifier ("Korvax:datatypes:RGBAColor:ParseError") and get_message_text() the catalog's text.
//   Inside a host call (a live zx::CallFrame) it is the host's zx::HostError, whose what() is that text;
//   outside one it is the library's own exception, whose what() is the identifier. Running out of
//   memory raises the foundation library's bad_alloc (a std::bad_alloc).
#pragma once

#include "arraylib/zxarray.h"
#include "arraylib/zxerror.h"
#include "datatype/library.h"
#include "foundationlib/except.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/java_type_conversion.h"
#include "utillib/ut.h"

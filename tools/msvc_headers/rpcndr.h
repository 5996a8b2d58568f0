#pragma once
#include_next <rpcndr.h>

// __uuidof needs the identifiers.
#undef MIDL_INTERFACE
#define MIDL_INTERFACE(id) struct __declspec(uuid(id)) __declspec(novtable)

#pragma once

// The script that makes an empty database of schema version versaoDoEsquema. The workstation itself never runs it:
// the capture service, the demonstration maker and the tests do.
extern const char *const esquemaSQL;
constexpr int versaoDoEsquema = 1;

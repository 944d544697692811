#pragma once

// Symbol visibility of the steeldesign library: hidden by default, public classes exported explicitly.
#define STEELDESIGN_API __attribute__((visibility("default")))

// What nearly every test includes, compiled once.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Base of every test that starts a child: ends with the check that no process is left, neither a
// child nor a child of a child, whatever group it went to.
class ChildTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};

// Whether this program has a child, be it one that has ended and was not reaped.
bool hasChild();

// The ids of all living processes that descend from this test program.
std::vector<int> livingDescendants();

// Reads descriptor to its end.
std::string readToEnd(int descriptor);

// How many descriptors this program has open.
int openDescriptors();

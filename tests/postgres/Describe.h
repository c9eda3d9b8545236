#pragma once

#include "database/Structure.h"

#include <string>
#include <vector>

/// A line for each thing in a structure, references by names, in the order of the alphabet; without where the
/// structure comes from and the name of the database.
std::vector<std::string> describe(database::Structure const& structure);

/// What only one of two descriptions has, a line each with a sign before it; empty for equal ones.
std::string differenceOf(std::vector<std::string> const& before, std::vector<std::string> const& after);

#pragma once

#include "archive/Poem.h"

class CliInvocation;

// Finds the poem named by its id on the command line, or reports it and returns null.
PoemPtr findPoemArgument(CliInvocation &invocation, const QString &idText);
// For a command that changes the poem named first: the archive must be writable.
PoemPtr findPoemToChange(CliInvocation &invocation);

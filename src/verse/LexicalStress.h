#pragma once

// How strongly a syllable is stressed in the word on its own.
enum class LexicalStress { unstressed, secondary, primary };

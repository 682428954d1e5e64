// gen_define.h for the V4 generation of the stack.
#pragma once

#include "generators/defines/definegenerator.h"

class GenDefineGenerator : public DefineGenerator
{
    Q_OBJECT

public:
    GenDefineGenerator() : DefineGenerator(v4DefineDialect()) {}
};

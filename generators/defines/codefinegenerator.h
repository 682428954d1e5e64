// gen_define.h for the classic generation of the stack.
#pragma once

#include "generators/defines/definegenerator.h"

class CoDefineGenerator : public DefineGenerator
{
    Q_OBJECT

public:
    CoDefineGenerator() : DefineGenerator(classicDefineDialect()) {}
};

// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/startup.h"

int main(int argc, char *argv[])
{
    return Startup::run(argc, argv);
}

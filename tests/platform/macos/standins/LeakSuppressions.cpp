// What GNUstep and its runtime keep to the end of the process, the tables of classes and selectors
// above all, is no leak of ours. Read by the leak sanitizer, in programs that are built with it.

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the sanitizer's

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libobjc.so\n"
           "leak:libgnustep-base.so\n"
           "leak:libgnustep-gui.so\n";
}

extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

// NOLINTEND(bugprone-reserved-identifier)

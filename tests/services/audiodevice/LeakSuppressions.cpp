// What the libraries of the system's sound servers keep to themselves; read by the leak check alone.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libjack.so\nleak:libpulse.so\nleak:librtaudio.so\nleak:librtmidi.so\n";
}

extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

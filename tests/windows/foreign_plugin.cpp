// A host's plug-in from another vendor, built by MinGW on its shared run-time libraries.
extern "C" __declspec(dllexport) int ThrowAndCatch(int value) {
  try {
    throw value;
  } catch (int caught) {
    return caught;
  }
}

// A host's plug-in from another vendor, built by MinGW on its shared run-time libraries.
extern "C" __declspec(dllexport) int ThrowAndCatch() {
  try {
    throw 7;
  } catch (int caught) {
    return caught;
  }
}

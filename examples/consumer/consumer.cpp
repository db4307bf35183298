// A host embedding orbdatatypes: it starts the library, sets a color from an array and from text, reads
// the values back both ways, catches a refusal, frees what it was given and stops.
#include <cstdio>

#include "datatype/embedding.h"

int main() {
  KXInitialize_orbdatatypes(nullptr);
  const char* name = "korvax.graphics.datatype.RGBAColor";
  objsys::COSDataType* color = objsys::COSTypeRepository::getType(name);
  const objsys::COSTypeConversion* arrays = objsys::COSTypeRepository::getConversion("any", name);
  const objsys::COSTypeConversion* texts = objsys::COSTypeRepository::getConversion("asciiString", name);

  zxArray* orange = zxCreateDoubleMatrix(1, 3, zxREAL);
  zxGetWritablePr(orange)[0] = 1;
  zxGetWritablePr(orange)[1] = 0.5;
  const objsys::COSValue fromArray = arrays->from(objsys::COSValue(orange));
  zxDestroyArray(orange);  // the value holds what it needs
  const objsys::COSValue fromText = texts->from(objsys::COSValue("blue"));

  char* text = texts->to(fromArray).as<char>();
  zxArray* array = arrays->to(fromText).as<zxArray>();
  std::printf("orange is %s, blue is [%g %g %g]\n", text, zxGetPr(array)[0], zxGetPr(array)[1], zxGetPr(array)[2]);
  utFree(text);
  zxDestroyArray(array);

  try {
    const zx::CallFrame call;  // inside a host call, a refusal carries the catalog's message
    texts->from(objsys::COSValue("bleu"));
  } catch (const fl::except::IMsgIDException& refusal) {
    std::printf("refused: %s\n  %s\n", refusal.get_error_id(), refusal.get_message_text().c_str());
  }
  color->destroy(fromArray);
  color->destroy(fromText);
  KXTerminate_orbdatatypes();
}

// What all message bodies share. The destructors stand here so that each class has one table of
// virtual functions, in the library.
#include "quarn/encoder/message_body.h"

Sml_Message_Body::Sml_Message_Body() noexcept = default;

// Without memory for the choice there are no fields either, so that the count of fields tells.
Sml_Message_Body::Sml_Message_Body(unsigned int t, unsigned int n) noexcept
    : choiceList(2, false), tag(t),
      elementList(choiceList.GetCount() != 0 ? static_cast<int>(n) : 0, false)
{
    choiceList.SetElement(&tag, 0);
    choiceList.SetElement(&elementList, 1);
}

Sml_Message_Body::~Sml_Message_Body() = default;
Sml_Open_Request::~Sml_Open_Request() = default;
Sml_Open_Response::~Sml_Open_Response() = default;
Sml_Close_Request::~Sml_Close_Request() = default;
Sml_Close_Response::~Sml_Close_Response() = default;
Sml_GetProfile_Req::~Sml_GetProfile_Req() = default;
Sml_GetProfList_Resp::~Sml_GetProfList_Resp() = default;
Sml_GetProcPar_Req::~Sml_GetProcPar_Req() = default;
Sml_GetProcPar_Resp::~Sml_GetProcPar_Resp() = default;
Sml_SetProcPar_Req::~Sml_SetProcPar_Req() = default;
Sml_GetList_Req::~Sml_GetList_Req() = default;
Sml_GetList_Resp::~Sml_GetList_Resp() = default;
Sml_Attention_Response::~Sml_Attention_Response() = default;

void Sml_Message_Body::ToBin(cBuffer* buf) { choiceList.ToBin(buf); }

unsigned int Sml_Message_Body::GetSecListCount() const noexcept
{
    return static_cast<unsigned int>(elementList.GetCount());
}

int Sml_Message_Body::SetListElement(Sml_Type* e, unsigned int i) noexcept
{
    return i < GetSecListCount() ? elementList.SetElement(e, static_cast<int>(i))
                                 : int{SML_LIST_BAD_INDEX};
}

Sml_Type* Sml_Message_Body::GetListElement(unsigned int i) const noexcept
{
    return elementList.GetElement(static_cast<int>(i));
}

int Sml_Message_Body::AddListElement(Sml_Type* e) noexcept { return elementList.Add(e); }

#include "app/hub/PostMsg.h"

PostMsg *postMsg()
{
    static auto *const instance = new PostMsg;
    return instance;
}

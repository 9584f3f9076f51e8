#include "app/PostMsg.h"

PostMsg *postMsg()
{
    static auto *const instance = new PostMsg;
    return instance;
}

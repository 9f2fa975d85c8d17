// Must not compile: the floor below cannot see the store.
#include "store/tally_db.h"

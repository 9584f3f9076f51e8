#include "sensor/SensorDPI.h"

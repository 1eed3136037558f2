/// The exported value classes of geometry: points, vectors, lines, planes, boxes and transforms.
#pragma once

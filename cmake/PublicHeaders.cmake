# The headers that a host includes as <QRV/Name.h>. They stand beside their sources; in the build tree a
# forwarding header of the same name leads to each, so that one spelling serves the library and its hosts.

set(QRV_PUBLIC_HEADERS
  src/api/API.h
  src/api/Callbacks.h
  src/api/ChangeReports.h
  src/api/HistoryInformation.h
  src/api/Images.h
  src/api/LayersAndLevels.h
  src/api/Materials.h
  src/api/ObjectData.h
  src/api/ObjectDump.h
  src/appearance/Color.h
  src/frame/DataRecords.h
  src/frame/Export.h
  src/frame/GroupInstancePath.h
  src/frame/Ids.h
  src/frame/ModelChange.h
  src/frame/ObjectTypes.h
  src/frame/Result.h
  src/frame/ResultCodes.inl
  src/geometry/Geometry.h
  src/geometry/Interval2d.h
  src/geometry/Interval3d.h
  src/geometry/Line3d.h
  src/geometry/Plane.h
  src/geometry/Point2d.h
  src/geometry/Point3d.h
  src/geometry/Tolerances.h
  src/geometry/Transf3d.h
  src/journal/AnyConverters.h
  src/journal/JSONConversion.h
  src/journal/JSONDataRecords.h
  src/journal/Journaling.h
)

set(QRV_FORWARDING_INCLUDE ${CMAKE_CURRENT_BINARY_DIR}/include CACHE PATH "Where the forwarding headers stand")
mark_as_advanced(QRV_FORWARDING_INCLUDE)
foreach(header IN LISTS QRV_PUBLIC_HEADERS)
  get_filename_component(name ${header} NAME)
  # A relative path, so that two checkouts share one compiler cache.
  file(RELATIVE_PATH path ${QRV_FORWARDING_INCLUDE}/QRV ${CMAKE_CURRENT_SOURCE_DIR}/${header})
  file(CONFIGURE OUTPUT ${QRV_FORWARDING_INCLUDE}/QRV/${name} CONTENT "#include \"${path}\"\n" @ONLY)
endforeach()
